classdef LabeledSlider < handle
    %LABELEDSLIDER A slider with a caption and a value read-out.

    properties (SetObservable)
        Value (1,1) double = 0
    end

    properties (SetAccess = private)
        Panel
        Slider
        Readout
    end

    properties
        Format (1,:) char = '%.2f'
        ValueChangedFcn = []
    end

    events
        ValueChanged
    end

    methods
        function obj = LabeledSlider(parent, caption, limits, position)
            obj.Panel = uipanel('Parent', parent, 'Title', caption, ...
                'Units', 'pixels', 'Position', position, ...
                'BorderType', 'etchedin');
            width = position(3);
            obj.Slider = uicontrol(obj.Panel, 'Style', 'slider', ...
                'Min', limits(1), 'Max', limits(2), 'Value', limits(1), ...
                'Position', [8 8 width-80 20], ...
                'Callback', @(src, ~) obj.onSlider(src));
            obj.Readout = uicontrol(obj.Panel, 'Style', 'text', ...
                'Position', [width-66 8 56 20], ...
                'String', sprintf(obj.Format, limits(1)));
            obj.Value = limits(1);
            addlistener(obj, 'Value', 'PostSet', @(~, ~) obj.refresh());
        end

        function set.Format(obj, fmt)
            obj.Format = fmt;
            if ~isempty(obj.Readout) && isvalid(obj.Readout) %#ok<MCSUP>
                obj.refresh();
            end
        end
    end

    methods (Access = private)
        function onSlider(obj, src)
            obj.Value = get(src, 'Value');
            notify(obj, 'ValueChanged');
            if ~isempty(obj.ValueChangedFcn)
                feval(obj.ValueChangedFcn, obj, obj.Value);
            end
        end

        function refresh(obj)
            set(obj.Readout, 'String', sprintf(obj.Format, obj.Value));
            set(obj.Slider, 'Value', obj.Value);
        end
    end
end

function plotExplorer(data, labels)
%PLOTEXPLORER Interactive look at the columns of a data matrix.
%   PLOTEXPLORER(DATA, LABELS) shows one column at a time; the slider picks
%   the column and the check boxes switch smoothing and markers on and off.

if nargin < 2
    labels = compose("Column %d", 1:size(data, 2));
end

state.column = 1;
state.smooth = false;
state.markers = false;
state.window = 5;

hFig = figure('Name', 'Plot explorer', 'Units', 'normalized', ...
    'Position', [0.2 0.2 0.6 0.6], 'Color', 'w', ...
    'KeyPressFcn', @onKey, 'WindowScrollWheelFcn', @onScroll);
hAx = axes('Parent', hFig, 'Position', [0.08 0.25 0.88 0.68]);
hLine = plot(hAx, data(:, 1), 'LineWidth', 1.25);
hSlider = uicontrol('Parent', hFig, 'Style', 'slider', ...
    'Units', 'normalized', 'Position', [0.08 0.1 0.5 0.05], ...
    'Min', 1, 'Max', size(data, 2), 'Value', 1, ...
    'SliderStep', [1 1] / max(1, size(data, 2) - 1));
hSmooth = uicontrol('Parent', hFig, 'Style', 'checkbox', 'String', 'Smooth', ...
    'Units', 'normalized', 'Position', [0.62 0.1 0.12 0.05]);
hMarkers = uicontrol('Parent', hFig, 'Style', 'checkbox', 'String', 'Markers', ...
    'Units', 'normalized', 'Position', [0.76 0.1 0.12 0.05]);

set(hSlider, 'Callback', @(src, evt) onSlide(src, evt));
set([hSmooth hMarkers], 'Callback', @(src, ~) onToggle(src));
addlistener(hSlider, 'Value', 'PostSet', @(~, ~) onSlide(hSlider, []));

redraw();

    function onSlide(src, ~)
        state.column = round(get(src, 'Value'));
        redraw();
    end

    function onToggle(src)
        switch get(src, 'String')
            case 'Smooth'
                state.smooth = logical(get(src, 'Value'));
            case 'Markers'
                state.markers = logical(get(src, 'Value'));
        end
        redraw();
    end

    function onKey(~, evt)
        switch evt.Key
            case {'rightarrow', 'uparrow'}
                step = 1;
            case {'leftarrow', 'downarrow'}
                step = -1;
            otherwise
                return
        end
        state.column = min(max(state.column + step, 1), size(data, 2));
        set(hSlider, 'Value', state.column);
    end

    function onScroll(~, evt)
        state.window = max(1, state.window - evt.VerticalScrollCount);
        if state.smooth, redraw(); end
    end

    function redraw()
        y = data(:, state.column);
        if state.smooth
            y = movmean(y, state.window);
        end
        set(hLine, 'YData', y);
        if state.markers
            set(hLine, 'Marker', 'o', 'MarkerSize', 4);
        else
            set(hLine, 'Marker', 'none');
        end
        title(hAx, sprintf('%s (window %d)', labels(state.column), state.window), ...
            'Interpreter', 'none');
    end
end

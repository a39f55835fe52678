function fig = unitConverter()
%UNITCONVERTER Small window that converts between units of length.
%   The callbacks are nested functions, so they share the state below.

units = {'mm', 'cm', 'm', 'km', 'in', 'ft', 'mi'};
factors = [1e-3, 1e-2, 1, 1e3, 0.0254, 0.3048, 1609.344];
history = struct('from', {}, 'to', {}, 'value', {}, 'result', {});

fig = figure('Name', 'Unit converter', ...
             'NumberTitle', 'off', ...
             'MenuBar', 'none', ...
             'ToolBar', 'none', ...
             'Resize', 'off', ...
             'Position', [300 300 360 180], ...
             'CloseRequestFcn', @onClose);

uicontrol(fig, 'Style', 'text', 'String', 'Value:', ...
    'HorizontalAlignment', 'left', 'Position', [20 130 60 20]);
valueEdit = uicontrol(fig, 'Style', 'edit', 'String', '1', ...
    'BackgroundColor', [1 1 1], ...
    'Position', [90 130 100 24], ...
    'Callback', @(src, evt) convert());
fromMenu = uicontrol(fig, 'Style', 'popupmenu', 'String', units, ...
    'Value', 3, 'Position', [200 130 60 24], 'Callback', @(~, ~) convert());
toMenu = uicontrol(fig, 'Style', 'popupmenu', 'String', units, ...
    'Value', 6, 'Position', [270 130 60 24], 'Callback', @(~, ~) convert());
resultText = uicontrol(fig, 'Style', 'text', 'String', '', ...
    'FontSize', 14, 'FontWeight', 'bold', ...
    'Position', [20 70 320 40]);
swapButton = uicontrol(fig, 'Style', 'pushbutton', 'String', 'Swap', ...
    'Position', [20 20 80 30]);
set(swapButton, 'Callback', @(src, evt) onSwap(src, evt));
uicontrol(fig, 'Style', 'pushbutton', 'String', 'History', ...
    'Position', [110 20 80 30], 'Callback', {@showHistory, 'verbose'});

convert();

    function convert()
        value = str2double(get(valueEdit, 'String'));
        if isnan(value)
            set(resultText, 'String', 'not a number', 'ForegroundColor', [0.8 0 0]);
            return
        end
        from = get(fromMenu, 'Value');
        to = get(toMenu, 'Value');
        result = value * factors(from) / factors(to);
        set(resultText, 'String', sprintf('%g %s = %.6g %s', value, units{from}, result, units{to}), ...
            'ForegroundColor', [0 0 0]);
        history(end+1) = struct('from', units{from}, 'to', units{to}, ...
                                'value', value, 'result', result);
    end

    function onSwap(~, ~)
        from = get(fromMenu, 'Value');
        set(fromMenu, 'Value', get(toMenu, 'Value'));
        set(toMenu, 'Value', from);
        convert();
    end

    function showHistory(~, ~, mode)
        if isempty(history)
            msgbox('No conversions yet.', 'History');
            return
        end
        lines = arrayfun(@(h) sprintf('%g %s -> %g %s', h.value, h.from, h.result, h.to), ...
            history, 'UniformOutput', false);
        if strcmp(mode, 'verbose')
            lines = [{sprintf('%d conversions:', numel(history))}, lines];
        end
        listdlg('ListString', lines, 'SelectionMode', 'single', ...
            'Name', 'History', 'ListSize', [250 200]);
    end

    function onClose(src, ~)
        if numel(history) > 10
            answer = questdlg('Close and forget the history?', 'Close', ...
                'Yes', 'No', 'No');
            if ~strcmp(answer, 'Yes')
                return
            end
        end
        delete(src);
    end
end

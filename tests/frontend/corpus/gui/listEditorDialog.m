function items = listEditorDialog(items, title)
% LISTEDITORDIALOG  Modal dialog to add, remove and reorder text items.
%   ITEMS = LISTEDITORDIALOG(ITEMS) returns the edited cell array of
%   strings, or the original list when the dialog is cancelled.
if nargin < 2
    title = 'Edit list';
end
original = items;

d = dialog('Name', title, 'Position', [400 300 320 260], ...
    'WindowStyle', 'modal');
lb = uicontrol(d, 'Style', 'listbox', 'String', items, ...
    'Position', [10 50 200 200], 'Max', 2, 'Min', 0);
ed = uicontrol(d, 'Style', 'edit', 'Position', [10 15 200 25], ...
    'HorizontalAlignment', 'left');

buttons = {
    'Add',    @addItem
    'Remove', @removeItems
    'Up',     @(~, ~) moveItems(-1)
    'Down',   @(~, ~) moveItems(+1)
    'OK',     @(~, ~) uiresume(d)
    'Cancel', @cancel
};
for k = 1:size(buttons, 1)
    uicontrol(d, 'Style', 'pushbutton', 'String', buttons{k, 1}, ...
        'Position', [220, 250 - 35*k, 90, 28], ...
        'Callback', buttons{k, 2});
end

uiwait(d);
if ishandle(d)
    delete(d);
end

    function addItem(~, ~)
        text = strtrim(get(ed, 'String'));
        if ~isempty(text)
            items{end+1} = text;
            set(lb, 'String', items, 'Value', numel(items));
            set(ed, 'String', '');
        end
    end

    function removeItems(~, ~)
        selected = get(lb, 'Value');
        items(selected) = [];
        set(lb, 'String', items, 'Value', min(max(1, min(selected)), max(1, numel(items))));
    end

    function moveItems(direction)
        selected = get(lb, 'Value');
        target = selected + direction;
        if any(target < 1) || any(target > numel(items))
            return
        end
        order = 1:numel(items);
        order([selected target]) = order([target selected]);
        items = items(order);
        set(lb, 'String', items, 'Value', target);
    end

    function cancel(~, ~)
        items = original;
        uiresume(d);
    end
end

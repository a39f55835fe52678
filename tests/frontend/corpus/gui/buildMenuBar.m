function menus = buildMenuBar(fig, handlers)
%BUILDMENUBAR Creates the File, Edit and Help menus from a table.
%   HANDLERS is a struct whose fields are callbacks named like the items.
layout = {
    'File', {'Open...', 'Ctrl+O', 'open'; 'Save', 'Ctrl+S', 'save'; ...
             'Export...', '', 'export'; 'Quit', 'Ctrl+Q', 'quit'}
    'Edit', {'Undo', 'Ctrl+Z', 'undo'; 'Redo', 'Ctrl+Y', 'redo'}
    'Help', {'About', '', 'about'}
};
menus = gobjects(size(layout, 1), 1);
for m = 1:size(layout, 1)
    menus(m) = uimenu(fig, 'Label', layout{m, 1});
    entries = layout{m, 2};
    for e = 1:size(entries, 1)
        [label, accel, key] = entries{e, :};
        item = uimenu(menus(m), 'Label', label);
        if ~isempty(accel)
            set(item, 'Accelerator', accel(end));
        end
        if isfield(handlers, key)
            set(item, 'Callback', handlers.(key));
        else
            set(item, 'Enable', 'off');
        end
        if strcmp(key, 'quit')
            set(item, 'Separator', 'on');
        end
    end
end
end

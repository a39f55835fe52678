function labels = collectLabels(h)
%COLLECTLABELS The labels of a row of plot handles, gathered into one row.
%   Each handle holds a cell of labels; the blank before .Label belongs to
%   the element, it does not start a new one.
labels = {};
for n = 1:numel(h)
    for m = 1:numel(h(n).Label)
        labels = [labels {h(n) .Label{m}}];
    end
end
names = [h(1) .Name, "-", h(end) .Name];
set(h(1), 'UserData', names);

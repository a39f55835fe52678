function labels = mergeLabels(first, lists)
%MERGELABELS Joins label lists, dropping duplicates but keeping order.
%   labels = geometry.util.mergeLabels(["a" "b"], ["b" "c"], "d")
arguments
    first (1,:) string
end
arguments (Repeating)
    lists (1,:) string
end
labels = first;
for k = 1:numel(lists)
    labels = [labels, lists{k}]; %#ok<AGROW>
end
[~, firstSeen] = unique(labels, 'stable');
labels = labels(sort(firstSeen));
end

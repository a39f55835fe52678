function [words, counts] = wordFrequencies(text, minimumLength)
%WORDFREQUENCIES The distinct words of TEXT, lower-cased, with how often
%   each occurs, most frequent first. Words shorter than MINIMUMLENGTH
%   (default 1) are left out.

if nargin < 2
    minimumLength = 1;
end
tokens = regexp(lower(text), '[a-z'']+', 'match');
tokens = tokens(cellfun(@numel, tokens) >= minimumLength);
[words, ~, index] = unique(tokens);
counts = accumarray(index(:), 1)';
[counts, order] = sort(counts, 'descend');
words = words(order);

sum = 0;
for k = 1:numel(counts)
    sum = sum + counts(k);
end
fprintf('%d words, %d distinct\n', sum, numel(words));
end

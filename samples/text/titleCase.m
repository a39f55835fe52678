function result = titleCase(text)
%TITLECASE Capitalise the first letter of every word, except short joining
%   words after the first ("a tale of two cities" -> "A Tale of Two Cities").

minorWords = {'a', 'an', 'and', 'at', 'by', 'for', 'in', 'of', 'on', 'or', 'the', 'to'};
words = strsplit(strtrim(text));
for k = 1:numel(words)
    word = lower(words{k});
    if k == 1 || ~any(strcmp(word, minorWords))
        word(1) = upper(word(1));
    end
    words{k} = word;
end
result = strjoin(words, ' ');
end

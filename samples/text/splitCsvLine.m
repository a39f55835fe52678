function [fields, hadQuotes] = splitCsvLine(line, delimiter)
%SPLITCSVLINE Split one line of comma-separated values into its fields.
%   A field in double quotes may hold the delimiter, and "" stands for a
%   quote inside it. HADQUOTES says whether any field was quoted.

if nargin < 2
    delimiter = ',';
end
fields = {};
current = '';
quoted = false;
k = 1;
while k <= length(line)
    c = line(k);
    if quoted
        if c == '"' && k < length(line) && line(k + 1) == '"'
            current(end + 1) = '"'; %#ok<AGROW>
            k = k + 1;
        elseif c == '"'
            quoted = false;
        else
            current(end + 1) = c; %#ok<AGROW>
        end
    elseif c == '"'
        quoted = true;
    elseif c == delimiter
        fields{end + 1} = strtrim(current); %#ok<AGROW>
        current = '';
    else
        current(end + 1) = c; %#ok<AGROW>
    end
    k = k + 1;
end
fields{end + 1} = strtrim(current);
end

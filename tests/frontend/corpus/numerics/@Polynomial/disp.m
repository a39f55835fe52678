function disp(p)
%DISP Shows the polynomial in the usual notation, e.g. 2x^3 - x + 4.
c = p.Coefficients;
n = numel(c) - 1;
terms = {};
for k = 1:numel(c)
    a = c(k);
    e = n - k + 1;
    if a == 0 && n > 0
        continue
    end
    if e == 0
        t = sprintf('%g', abs(a));
    elseif e == 1
        t = sprintf('%gx', abs(a));
    else
        t = sprintf('%gx^%d', abs(a), e);
    end
    if isempty(terms)
        if a < 0, t = ['-' t]; end
    elseif a < 0
        t = [' - ' t];
    else
        t = [' + ' t];
    end
    terms{end+1} = t; %#ok<AGROW>
end
fprintf('  %s\n', [terms{:}]);

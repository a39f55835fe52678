function out = tabsEverywhere(in)
%TABSEVERYWHERE	Indented with tabs, and tabs as separators.
	out = zeros(size(in));
	for k = 1:numel(in)
		if in(k) > 0
			out(k) = in(k);	% keep positives
		else
			out(k) = 0;
		end
	end
	M = [1	2	3
	     4	-5	6];
	C = {'a'	'b'};
	out = out +	sum(M(:)) * numel(C);
	if	out(1) > 0,	out(1) = 1;	end
end

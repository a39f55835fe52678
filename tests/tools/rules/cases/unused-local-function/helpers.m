function report = helpers(values)
% Local functions reached by call, command, handle and from nested code.
  report.total = total_of(values);
  report.sorted = sortWith(@descending, values);
  show_header
  report.text = formatter();

  function text = formatter()
    text = sprintf('%d values', numel(values));
    note_use();
  end
end

function t = total_of(v)
  t = sum(v);
end

function s = sortWith(order, v)
  s = order(v);
end

function s = descending(v)
  s = sort(v, 'descend');
end

function show_header
  disp('report');
end

function note_use()
  disp('used');
end

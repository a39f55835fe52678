function main_only()
% The main function is called from outside the file and never reported.
  disp('main');
end

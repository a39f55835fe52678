classdef Blank
  methods
    function obj = Blank()
      disp('made');
    end
  end
end

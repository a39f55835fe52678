classdef Level
  % An enumerator is checked where it is declared; its uses are not.
  enumeration
    Low
    highestLevelThatTheControllerAcceptsBeforeItSwitchesToEmergencyMode  % expect: long-identifier
  end
  methods (Static)
    function l = top()
      l = Level.highestLevelThatTheControllerAcceptsBeforeItSwitchesToEmergencyMode;
    end
  end
end

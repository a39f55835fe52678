% Shell escapes, imports, globals and command forms.
import geometry.shapes.*
import geometry.util.distance
global LOG_LEVEL SETTINGS
!echo building the documentation
!ls -l *.m > listing.txt
LOG_LEVEL = 2;
SETTINGS.verbose = true;
c = Circle(2);
d = distance([0 0], [3 4])
mkdir build
cd build
addpath ../src -end
rmpath ../old
cd ..
echo off
more off
beep off
diary session.log
diary off
pause(0.1)

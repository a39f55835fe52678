% A script that tries to build an object by hand.
obj = struct();
obj@Base(1);  % expect: superclass-constructor-outside-constructor

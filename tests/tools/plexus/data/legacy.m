% café
z = 3;

// Not the header of a system.
#error "included because it is there"

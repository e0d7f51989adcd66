"""One module for each kind of data file; each has make(facts), which yields (file name, text) pairs."""

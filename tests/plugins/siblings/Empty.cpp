// A resource library needs an object to link.

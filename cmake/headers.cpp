// Gives the headers that are compiled beforehand a target of their own; nothing of it is linked.

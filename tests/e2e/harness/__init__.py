"""Building blocks of the end-to-end tests: their own desktop, real keys, windows, pixels, log and call records."""

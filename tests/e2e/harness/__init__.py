"""What the end-to-end tests are written with: a desktop of their own, real keys, windows, pixels, log and call records."""

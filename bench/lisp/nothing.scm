(display 0)

// placeholder for the window library until the first window lands

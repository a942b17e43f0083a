// placeholder, replaced by the data folder implementation

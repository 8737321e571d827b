// A header of the upper layer.

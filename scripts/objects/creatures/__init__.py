"""What walks, flies and waits in a level, and what such creatures go by."""

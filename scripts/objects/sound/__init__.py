"""What a level sounds like."""

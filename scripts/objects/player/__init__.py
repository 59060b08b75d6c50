"""The player: body, hands, pockets, nerves, life, and what his keys ask of them."""

"""What the end-to-end tests share: the screen, the layout, the Hub's process and files, and the catalogue."""

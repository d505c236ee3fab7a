"""kestol-import: from a mesh and a recipe to a deck of kestol."""

__version__ = "0.1.0"

"""The recipe that turns Debian packages into Orva's models; see models/SOURCES.md."""

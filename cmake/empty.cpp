// Placeholder for a subsystem library that has no sources yet.

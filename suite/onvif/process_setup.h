#pragma once
// What the tool's process needs before it prints to a pipe: a reader that
// went away must not end it, and the JSON text goes out byte for byte.
namespace onvif {

void prepareProcess();

} // namespace onvif

#pragma once

/// Makes a write to a pipe whose reader has gone fail with EPIPE instead of ending
/// the process. main() calls it once, before any thread or child is started.
void ignoreSigpipe();

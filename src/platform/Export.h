#pragma once

// Marks what the shared library exports. Everything else stays hidden.
#define KALVIO_API __attribute__((visibility("default")))

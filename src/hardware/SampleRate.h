#pragma once

// The analogue sample rates.

enum class SampleRate : int { k48kHz = 0, k96kHz = 1, k192kHz = 2 };

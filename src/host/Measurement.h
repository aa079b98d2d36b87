#pragma once

// The host's analyser, generator and FFT documents, as far as the library reads and drives them.

#include "host/AnalyserSettings.h"
#include "host/FftDetectors.h"
#include "host/FftParameters.h"
#include "host/GeneratorSettings.h"
#include "host/MeasurementHelpers.h"

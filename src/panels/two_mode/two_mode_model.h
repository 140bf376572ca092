// KVT71374 and KVT71376: a record a model of everything in which their panels differ.
#pragma once

#include <span>

#include "panels/converter/converter_model.h"

namespace varzelin {

struct TwoModeModel {
  ConverterModel converter;
};

// Both models.
std::span<const TwoModeModel> two_mode_models();

}  // namespace varzelin

// KVT71385, KVT71388, KVT71390 and KVT71392: a record a model of everything in which their panels differ.
#pragma once

#include <span>
#include <vector>

#include "panels/converter/converter_model.h"

namespace varzelin {

// The panel that the interrupt test works.
inline constexpr const char* kvt71385_form_name = "frmKVT71385";

struct MultiFunctionModel {
  ConverterModel converter;
  const char* title_at_load;            // the chip's revision goes behind it
  std::vector<int> short_layout_hides;  // positions of OptMeasure
  bool full_layout_shows_pair = false;
  const char* unsigned_minimum = "0";  // of the right-hand scale, behind a choice of the scheme
  bool has_cover = false;
  bool has_offset = false;
  bool has_interrupt_test = false;
};

// All models.
std::span<const MultiFunctionModel> multi_function_models();

}  // namespace varzelin

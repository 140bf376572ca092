#include "boards/simulated/models.h"

#include <array>

#include "boards/simulated/sensors/kvt71338.h"
#include "boards/simulated/sensors/kvt71344.h"
#include "boards/simulated/sensors/kvt71346.h"
#include "boards/simulated/sensors/kvt71374.h"
#include "boards/simulated/sensors/kvt71385.h"

namespace boards {
namespace {

using Factory = std::unique_ptr<Sensor> (*)(const Surroundings&);

std::unique_ptr<Sensor> kvt71346(const Surroundings& surroundings) {
  return std::make_unique<Kvt71346>(surroundings);
}

std::unique_ptr<Sensor> kvt71338(const Surroundings& surroundings) {
  return std::make_unique<Kvt71338>(surroundings);
}

template <const Kvt71344::Model& Which>
std::unique_ptr<Sensor> kvt71344(const Surroundings& surroundings) {
  return std::make_unique<Kvt71344>(Which, surroundings);
}

std::unique_ptr<Sensor> kvt71385(const Surroundings& surroundings) {
  return std::make_unique<Kvt71385>(surroundings);
}

std::unique_ptr<Sensor> kvt71374(const Surroundings& surroundings) {
  return std::make_unique<Kvt71374>(surroundings);
}

struct Model {
  std::string_view name;
  Factory make;
};

constexpr std::array models{
    Model{"KVT71346/7", kvt71346}, Model{"KVT71344/5", kvt71344<Kvt71344::kvt71344>},
    Model{"KVT71388", kvt71385},   Model{"KVT71356", kvt71344<Kvt71344::kvt71356>},
    Model{"KVT71374", kvt71374},   Model{"KVT71385", kvt71385},
    Model{"KVT71338", kvt71338},   Model{"KVT71390", kvt71385},
    Model{"KVT71376", kvt71374},   Model{"KVT71392", kvt71385},
};

}  // namespace

std::vector<std::string_view> simulated_models() {
  std::vector<std::string_view> names;
  for (const Model& model : models) names.push_back(model.name);
  return names;
}

std::unique_ptr<Sensor> make_sensor(std::string_view name, const Surroundings& surroundings) {
  for (const Model& model : models) {
    if (model.name == name) return model.make(surroundings);
  }
  return nullptr;
}

}  // namespace boards

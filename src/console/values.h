// Values of properties and shared variables between the program and the lines.
#pragma once

#include <string>

#include "bridge/store_access.h"
#include "console/json.h"
#include "forms/property.h"

namespace console {

void write(Json& json, const forms::Value& value);
void write(Json& json, const varzelin::StoreValue& value);

// The text as a value of the property's own type: true or false, a whole number, a number, a text, a
// colour as #RRGGBB or as the platform's number, decimal or hexadecimal. Throws Refused.
forms::Value parse_like(const forms::Value& model, const std::string& text);
varzelin::StoreValue parse_like(const varzelin::StoreValue& model, const std::string& text);

}  // namespace console

#include "method_frame.h"

#include <performance_tracer/constants.h>

#include <cctype>

#include "core/host_cells.h"
#include "messages.h"

namespace performance_tracer {

bool isStrictText(const hvArray* value) { return hvIsChar(value) && hvIsVector(value); }

bool isPlainText(const hvArray* value) { return hvIsCharVector(value); }

std::string textOf(const hvArray* value) { return hvArrayToStdString(value); }

bool readBoolean(const hvArray* value) {
    return hvIsLogicalScalar(value) && hvIsLogicalScalarTrue(value);
}

double readReal(const hvArray* value) { return hvIsScalar(value) ? hvGetScalar(value) : 0.0; }

std::int32_t readInteger(const hvArray* value) { return pt::readInt32(value); }

std::vector<std::string> cellStringList(const hvArray* cell) {
    std::vector<std::string> texts;
    const std::size_t count = hvGetNumberOfElements(cell);
    for (std::size_t i = 0; i < count; ++i) {
        const hvArray* element = hvGetCell(cell, i);
        if (!hvIsCharVector(element)) {
            raise<Errors::AddGroupingExpectedString>();
        }
        texts.push_back(textOf(element));
    }
    return texts;
}

bool isMetricName(const std::string& name) {
    return name == pt::kMetricTime || name == pt::kMetricBasicMemory ||
           name == pt::kMetricDetailedMemory;
}

std::string foldLower(std::string text) {
    for (char& c : text) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    return text;
}

void setResult(std::uint32_t& nlhs, hvArray** plhs, hvArray* value) {
    plhs[0] = value;
    nlhs = 1;
}

}  // namespace performance_tracer

#include "base/value.h"

#include "base/number_text.h"

namespace torvel {

double Value::number() const {
    if (isDouble())
        return std::get<double>(m_data);
    if (isInt())
        return static_cast<double>(std::get<std::int64_t>(m_data));
    if (isBool())
        return std::get<bool>(m_data) ? 1.0 : 0.0;
    return 0.0;
}

std::string textOfDouble(double value) {
    return numberText(value, 6);
}

}  // namespace torvel

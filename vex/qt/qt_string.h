// Conversions between the library's UTF-16 vex::String and QString. Both hold UTF-16 code
// units, so the conversions copy the units unchanged.
//
//   label->setText(vex::qt::ToQString(u"Beam 007"));
#pragma once

#include <QString>

#include "vex/platform/types.h"

namespace vex::qt {

inline QString ToQString(const String& text) { return QString::fromStdU16String(text); }
inline String FromQString(const QString& text) { return text.toStdU16String(); }

}  // namespace vex::qt

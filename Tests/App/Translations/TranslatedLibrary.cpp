#include "VekAppCore/Text/TrString.h"

vek::TrString GetGreeting() { return vek::TrString::translate("TranslatedLibrary", "Good day"); }

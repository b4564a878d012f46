#include "Translations/TranslatedLibrary.h"

vek::TrString GetGreeting() { return vek::TrString::translate("TranslatedLibrary", "Good day"); }

#pragma once
#include "VekAppCore/Xml/AsciiStringView.h"
#include "VekAppCore/Xml/IXmlValidatorService.h"
#include "VekAppCore/Xml/XmlDescription.h"
#include "VekAppCore/Xml/XmlDeserializer.h"
#include "VekAppCore/Xml/XmlDetails.h"
#include "VekAppCore/Xml/XmlDocument.h"
#include "VekAppCore/Xml/XmlException.h"
#include "VekAppCore/Xml/XmlSerializer.h"

/// @defgroup Xml XML
/// Documents with typed values, errors with their lines, and a validator. See [XML](Docs/Xml.md).

#pragma once
#include "VekAppCore/App/ServiceBase.h"
#include "VekAppCore/Xml/XmlDescription.h"
#include "VekAppCore/Xml/XmlDocument.h"

namespace vek
{
/// Checks documents against descriptions. A module declares those of its own formats by appending a callback
/// to this interface's extension point:
/// App::DeclarationSystem::GetInstance().Append<IXmlValidatorService>([](IXmlValidatorService& validator)
/// {...});
class VEKAPPCORE_EXPORT IXmlValidatorService
    : public App::IServiceExtensible<IXmlValidatorService, XmlDescription>
{
public:
    ~IXmlValidatorService() override;

    /// Main thread only, at start-up. A description replaces one with the same name.
    virtual void Declare(XmlDescription description) = 0;

    /// All that is not as described, in the order of the document. Any thread that may read the document,
    /// once the application has started.
    /// @throws Exception::KeyNotFoundException  no description has that name.
    [[nodiscard]] virtual std::vector<XmlFinding>
    Validate(const XmlDocument& document, const AsciiStringView& rootName,
             const std::source_location& where = std::source_location::current()) const = 0;
};
} // namespace vek

#include "VekAppCore/App/RegisterService.h"
#include "VekAppCore/Xml/IXmlValidatorService.h"
#include <algorithm>
#include <map>

namespace vek
{
namespace
{
class XmlValidatorService final : public IXmlValidatorService
{
public:
    void OnNotify() override { App::DeclarationSystem::GetInstance().RunNew<IXmlValidatorService>(*this); }

    void Declare(XmlDescription description) override
    {
        const std::string name = description.GetName();
        m_descriptions.insert_or_assign(name, std::move(description));
    }

    std::vector<XmlFinding> Validate(const XmlDocument& document, const AsciiStringView& rootName,
                                     const std::source_location& where) const override
    {
        const auto found = m_descriptions.find(rootName.GetText());
        if (found == m_descriptions.end())
            throw Exception::KeyNotFoundException(
                QStringLiteral("Key not found: %1").arg(rootName.ToString()), where);
        try
        {
            const XmlDeserializer root = document.Deserialize(rootName);
            std::vector<XmlFinding> findings = found->second.Check(root);
            const auto* other = root.GetElement().GetDocument()->FirstChildElement();
            for (; other; other = other->NextSiblingElement())
                if (other != &root.GetElement())
                    findings.push_back(XmlDescription::MakeUnexpected(*other));
            std::ranges::stable_sort(findings, {}, &XmlFinding::line);
            return findings;
        }
        catch (const XmlException& exception) // without a root
        {
            return {{exception.GetPlace().line, exception.GetMessage().ToString()}};
        }
    }

private:
    std::map<std::string, XmlDescription> m_descriptions; ///< By the names of their roots.
};

VEK_DECLARE_SERVICE(IXmlValidatorService, XmlValidatorService);
} // namespace

IXmlValidatorService::~IXmlValidatorService() = default;
} // namespace vek

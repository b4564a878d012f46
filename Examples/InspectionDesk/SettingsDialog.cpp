#include "SettingsDialog.h"
#include "VekAppCore/App/SafeCallable.h"
#include "VekAppCore/App/Translations.h"
#include "VekAppCore/Text/LanguageChange.h"
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>

namespace vek::Desk
{
using StringUtility::ShowTranslated;

namespace
{
/// Whose text follows the language.
void AddItem(QComboBox* box, const TrString& text, const QVariant& data)
{
    const int index = box->count();
    box->addItem(QString(), data);
    StringUtility::OnLanguageChanged(box, text,
                                     [box, index](const QString& now) { box->setItemText(index, now); });
}
} // namespace

SettingsDialog::SettingsDialog(const DeskSettings& settings, QWidget* parent)
    : QDialog(parent),
      m_above(settings.above),
      m_below(settings.below),
      m_language(new QComboBox),
      m_unit(new QComboBox),
      m_tolerance(new LengthLineEdit),
      m_aboveButton(new QPushButton),
      m_belowButton(new QPushButton),
      m_restoresWindow(new QCheckBox),
      m_forgetsFiles(new QCheckBox)
{
    ShowTranslated(this, &QWidget::setWindowTitle, TrString::translate("InspectionDesk", "Settings"));
    AddItem(m_language, TrString::translate("InspectionDesk", "The system's"), QString());
    for (const QString& language : App::GetLanguages())
        m_language->addItem(App::GetLanguageName(language), language);
    // The settings may name one that is not in the list, such as fr_CA, of which French is shown.
    m_shownLanguage = m_language->findData(App::GetLanguage());
    if (m_shownLanguage < 0)
        m_shownLanguage = m_language->findData(App::GetShownLanguage());
    m_language->setCurrentIndex(m_shownLanguage);
    AddItem(m_unit, TrString::translate("InspectionDesk", "The one that suits"),
            QVariant::fromValue(ShownUnit()));
    for (const Unit::LengthUnit unit : Unit::GetUnits<Unit::LengthUnit>())
        m_unit->addItem(Convert::ToString(unit), QVariant::fromValue(ShownUnit(unit)));
    if (settings.unit)
        m_unit->setCurrentText(Convert::ToString(*settings.unit));
    m_tolerance->SetUnit(settings.tolerance.GetUnit());
    m_tolerance->SetRange(Unit::Length(0.0, Unit::LengthUnit::Millimeter), DeskSettings::largestTolerance);
    m_tolerance->SetValue(settings.tolerance);
    ShowTranslated(
        m_tolerance, &QWidget::setToolTip,
        TrString::translate("InspectionDesk", "A length with its unit; 0 for the largest deviation"));
    ShowTranslated(m_restoresWindow, &QCheckBox::setText,
                   TrString::translate("InspectionDesk", "Open where it was closed"));
    ShowTranslated(
        m_forgetsFiles, &QCheckBox::setText,
        TrString::translate("InspectionDesk", "Forget the list (%1)").Arg(settings.recentFiles.size()));
    m_restoresWindow->setChecked(settings.restoresWindow);
    m_forgetsFiles->setEnabled(!settings.recentFiles.isEmpty());
    connect(m_aboveButton, &QPushButton::clicked, this,
            App::SafeCallable([this] { _AskForColour(m_above); }));
    connect(m_belowButton, &QPushButton::clicked, this,
            App::SafeCallable([this] { _AskForColour(m_below); }));
    _ShowColours();

    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_tolerance, &QLineEdit::textChanged, this, App::SafeCallable([this, buttons] {
                buttons->button(QDialogButtonBox::Ok)->setEnabled(!m_tolerance->IsImpossible());
            }));
    auto* const form = new QFormLayout(this);
    const auto add = [form](const TrString& text, QWidget* field) {
        auto* const label = ShowTranslated(new QLabel, &QLabel::setText, text);
        label->setBuddy(field);
        form->addRow(label, field);
    };
    add(TrString::translate("InspectionDesk", "&Language"), m_language);
    add(TrString::translate("InspectionDesk", "&Unit of figures"), m_unit);
    add(TrString::translate("InspectionDesk", "Colours &end at"), m_tolerance);
    add(TrString::translate("InspectionDesk", "Colour &above the plane"), m_aboveButton);
    add(TrString::translate("InspectionDesk", "Colour &below the plane"), m_belowButton);
    add(TrString::translate("InspectionDesk", "Window"), m_restoresWindow);
    add(TrString::translate("InspectionDesk", "Recent files"), m_forgetsFiles);
    form->addRow(buttons);
}

void SettingsDialog::ApplyTo(DeskSettings& settings) const
{
    settings.unit = m_unit->currentData().value<ShownUnit>();
    settings.tolerance = m_tolerance->GetValue();
    settings.above = m_above;
    settings.below = m_below;
    settings.restoresWindow = m_restoresWindow->isChecked();
    if (m_forgetsFiles->isChecked())
        settings.recentFiles.clear();
}

std::optional<QString> SettingsDialog::GetChosenLanguage() const
{
    if (m_language->currentIndex() == m_shownLanguage)
        return std::nullopt;
    return m_language->currentData().toString();
}

void SettingsDialog::_ShowColours()
{
    for (const auto& [button, colour] :
         {std::pair(m_aboveButton, m_above), std::pair(m_belowButton, m_below)})
    {
        QPixmap sample(button->iconSize());
        sample.fill(colour);
        button->setIcon(sample);
        button->setText(colour.name());
    }
}

void SettingsDialog::_AskForColour(QColor& colour)
{
    const QColor chosen = QColorDialog::getColor(colour, this);
    if (chosen.isValid())
        colour = chosen;
    _ShowColours();
}
} // namespace vek::Desk

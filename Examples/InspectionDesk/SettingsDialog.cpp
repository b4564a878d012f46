#include "SettingsDialog.h"
#include "VekAppCore/App/SafeCallable.h"
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QFormLayout>

namespace vek::Desk
{
using namespace Qt::StringLiterals;

SettingsDialog::SettingsDialog(const DeskSettings& settings, QWidget* parent)
    : QDialog(parent),
      m_above(settings.above),
      m_below(settings.below),
      m_unit(new QComboBox),
      m_tolerance(new LengthLineEdit),
      m_aboveButton(new QPushButton),
      m_belowButton(new QPushButton),
      m_restoresWindow(new QCheckBox(u"Open where it was closed"_s)),
      m_forgetsFiles(new QCheckBox(u"Forget the list (%1)"_s.arg(settings.recentFiles.size())))
{
    setWindowTitle(u"Settings"_s);
    m_unit->addItem(u"The one that suits"_s, QVariant::fromValue(ShownUnit()));
    for (const Unit::LengthUnit unit : Unit::GetUnits<Unit::LengthUnit>())
        m_unit->addItem(Convert::ToString(unit), QVariant::fromValue(ShownUnit(unit)));
    if (settings.unit)
        m_unit->setCurrentText(Convert::ToString(*settings.unit));
    m_tolerance->SetUnit(settings.tolerance.GetUnit());
    m_tolerance->SetRange(Unit::Length(0.0, Unit::LengthUnit::Millimeter), DeskSettings::largestTolerance);
    m_tolerance->SetValue(settings.tolerance);
    m_tolerance->setToolTip(u"A length with its unit; 0 for the largest deviation"_s);
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
    form->addRow(u"&Unit of figures"_s, m_unit);
    form->addRow(u"Colours &end at"_s, m_tolerance);
    form->addRow(u"Colour &above the plane"_s, m_aboveButton);
    form->addRow(u"Colour &below the plane"_s, m_belowButton);
    form->addRow(u"Window"_s, m_restoresWindow);
    form->addRow(u"Recent files"_s, m_forgetsFiles);
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

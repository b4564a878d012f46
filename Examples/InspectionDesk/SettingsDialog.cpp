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
      m_tolerance(new QDoubleSpinBox),
      m_aboveButton(new QPushButton),
      m_belowButton(new QPushButton),
      m_restoresWindow(new QCheckBox(u"Open where it was closed"_s)),
      m_forgetsFiles(new QCheckBox(u"Forget the list (%1)"_s.arg(settings.recentFiles.size())))
{
    setWindowTitle(u"Settings"_s);
    for (const LengthUnit& unit : lengthUnits)
        m_unit->addItem(unit.name.toString());
    m_unit->setCurrentText(settings.unit.name.toString());
    m_tolerance->setDecimals(4);
    m_tolerance->setMaximum(DeskSettings::largestTolerance);
    m_tolerance->setSingleStep(0.01);
    m_tolerance->setSuffix(u" mm"_s);
    m_tolerance->setSpecialValueText(u"The largest deviation"_s);
    m_tolerance->setValue(settings.tolerance);
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
    settings.unit = lengthUnits[m_unit->currentIndex()];
    settings.tolerance = m_tolerance->value();
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

#pragma once
#include "InspectionDesk/DeskSettings.h"
#include "VekAppCore/Text/QuantityLineEdit.h"
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QPushButton>

namespace vek::Desk
{
/// Lets the user change the settings. Main thread only.
class SettingsDialog : public QDialog
{
public:
    SettingsDialog(const DeskSettings& settings, QWidget* parent);

    /// Puts what was chosen into the settings; others, which may have changed meanwhile, stay.
    void ApplyTo(DeskSettings& settings) const;
    /// For App::SetLanguage; empty where the user has left it as it was.
    [[nodiscard]] std::optional<QString> GetChosenLanguage() const;

private:
    void _ShowColours();
    void _AskForColour(QColor& colour);

    QColor m_above;
    QColor m_below;
    QComboBox* const m_language;
    int m_shownLanguage; ///< What m_language showed first.
    QComboBox* const m_unit;
    LengthLineEdit* const m_tolerance;
    QPushButton* const m_aboveButton;
    QPushButton* const m_belowButton;
    QCheckBox* const m_restoresWindow;
    QCheckBox* const m_forgetsFiles;
};
} // namespace vek::Desk

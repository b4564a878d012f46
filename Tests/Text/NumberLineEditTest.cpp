#include "VekAppCore/Text/NumberLineEdit.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/Translations.h"
#include "VekAppCore/Text/QuantityLineEdit.h"
#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <gtest/gtest.h>

namespace vek
{
namespace
{
using enum Unit::LengthUnit;

/// The text after that key.
QString Press(QLineEdit& edit, Qt::Key key, const QString& text = {})
{
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(&edit, &press);
    return edit.text();
}

/// Types in place of all that is there; the text after it.
QString Type(QLineEdit& edit, const QString& text)
{
    edit.selectAll();
    for (const QChar c : text)
        Press(edit, Qt::Key_unknown, c);
    return edit.text();
}

/// The text after the wheel has turned.
QString Roll(QLineEdit& edit, int degrees)
{
    QWheelEvent event({5, 5}, {5, 5}, {}, {0, degrees * 8}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                      false);
    QCoreApplication::sendEvent(&edit, &event);
    return edit.text();
}

class Fields : public testing::Test
{
protected:
    Fields()
    {
        auto* const layout = new QVBoxLayout(&dialog);
        layout->addWidget(&length);
        layout->addWidget(&number);
        length.SetUnit(Millimeter);
        dialog.show();
        length.setFocus();
        QApplication::setActiveWindow(&dialog);
        changed = length.OnValueChanged([this] { changes += Convert::ToString(length.GetValue()); });
    }

    const ScopeBase english = StringUtility::ChangeQSystemLocale(QLocale("en_US"));
    QStringList changes; ///< The values.
    QDialog dialog;
    LengthLineEdit length;
    NumberLineEdit number;
    Connection changed;
};

TEST_F(Fields, TypedUnitIsShownInTheProjects)
{
    EXPECT_EQ(length.text(), "0 mm");
    Type(length, "1in");
    EXPECT_EQ(changes, QStringList());
    EXPECT_EQ(Press(length, Qt::Key_Return), "25.4 mm");
    Type(length, "12.50"); // no unit: the project's
    number.setFocus();
    EXPECT_EQ(length.text(), "12.50 mm");
    length.SetValue(Unit::Length(1.0 / 3, Inch));
    EXPECT_EQ(length.text(), "8.46666666667 mm");
    EXPECT_EQ(changes, (QStringList{"1 in", "12.5 mm"}));
    EXPECT_EQ(Type(length, "5 \u03bcm"), "5 \u00b5m"); // the sign, not the letter
}

TEST_F(Fields, ImpossibleTextIsColouredAndExplained)
{
    length.setToolTip("Thickness");
    const auto getColour = [this] { return length.palette().color(QPalette::Base); };
    const QColor usual = getColour();
    Type(length, "12 bananas");
    EXPECT_TRUE(length.IsImpossible());
    EXPECT_NE(getColour(), usual);
    EXPECT_TRUE(length.toolTip().startsWith("\"12 bananas\" is not a number with one of the units "))
        << length.toolTip().toStdString();
    EXPECT_EQ(Press(length, Qt::Key_Return), "12 bananas"); // nothing is lost
    EXPECT_EQ(changes, QStringList());
    EXPECT_EQ(Press(length, Qt::Key_Escape), "0 mm");
    EXPECT_FALSE(length.IsImpossible());
    EXPECT_EQ(getColour(), usual);
    EXPECT_EQ(length.toolTip(), "Thickness");
    length.setToolTip({});
    Type(length, "1");
    EXPECT_EQ(length.toolTip(), "");
    Press(length, Qt::Key_Escape);
    EXPECT_TRUE(dialog.isVisible());
    Press(length, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible()); // there was nothing to restore
    Type(number, "-");
    EXPECT_FALSE(number.IsImpossible());
    Press(number, Qt::Key_Return);
    EXPECT_EQ(number.GetValue(), 0);
}

TEST_F(Fields, RangeIsKept)
{
    length.SetRange(Unit::Length(1, Millimeter), Unit::Length(1, Inch));
    EXPECT_EQ(length.text(), "1 mm");
    Type(length, "2 in");
    EXPECT_EQ(length.toolTip(), "A number from 1 mm to 25.4 mm is expected.");
    Press(length, Qt::Key_Return);
    EXPECT_EQ(length.GetValue(), Unit::Length(1, Millimeter));
    Type(length, "25");
    EXPECT_EQ(Press(length, Qt::Key_Up), "25.4 mm");
    number.SetRange(-1, 1);
    number.SetValue(5);
    EXPECT_EQ(number.GetValue(), 1);
}

TEST_F(Fields, KeysAndWheelStep)
{
    Type(length, "12.5");
    EXPECT_EQ(Press(length, Qt::Key_Up), "13.5 mm");
    EXPECT_EQ(Press(length, Qt::Key_PageDown), "3.5 mm");
    EXPECT_EQ(Press(length, Qt::Key_Down), "3.4 mm");
    EXPECT_EQ(changes, (QStringList{"12.5 mm", "13.5 mm", "3.5 mm", "3.4 mm"}));
    length.setFocus();
    EXPECT_EQ(Roll(length, 30), "3.6 mm");
    EXPECT_EQ(Roll(number, 15), "0"); // has no focus
    Type(length, "x");
    EXPECT_EQ(Press(length, Qt::Key_Up), "x");
    length.setReadOnly(true);
    length.SetValue(Unit::Length(1, Millimeter));
    EXPECT_EQ(Press(length, Qt::Key_Up), "1 mm");
}

TEST_F(Fields, DefaultUnitAndLanguageAreFollowed)
{
    const ScopeBase restore([] { Unit::SetDefaultUnit(Meter); });
    length.SetUnit(std::nullopt);
    length.SetValue(Unit::Length(1234.5, Millimeter));
    EXPECT_EQ(length.text(), "1.2345 m");
    Unit::SetDefaultUnit(Inch);
    EXPECT_EQ(length.text(), "48.6023622047 in");
    Unit::SetDefaultUnit(Millimeter);
    const ScopeBase french = StringUtility::ChangeQSystemLocale(QLocale("fr_FR"));
    App::InstallTranslations(QLocale(QLocale::French));
    const ScopeBase withoutFrench(&App::RemoveTranslations);
    QCoreApplication::processEvents();
    EXPECT_EQ(length.text(), "1234,5 mm");
    Type(length, "1 234,75"); // with the blank of the keyboard
    EXPECT_FALSE(length.IsImpossible());
    Press(length, Qt::Key_Return);
    EXPECT_EQ(length.GetValue(), Unit::Length(1234.75, Millimeter));
    Type(length, "x");
    EXPECT_TRUE(length.toolTip().contains("n\u2019est pas un nombre")) << length.toolTip().toStdString();
    length.setToolTip("own"); // while another one is shown
    EXPECT_TRUE(length.toolTip().contains("n\u2019est pas un nombre"));
    Type(length, "1");
    EXPECT_EQ(length.toolTip(), "own");
}
} // namespace
} // namespace vek

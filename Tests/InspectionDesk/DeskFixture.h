#pragma once
#include "InspectionDesk/IPlaneFitter.h"
#include "Support/TestSupport.h"
#include "VekAppCore/App/ApplicationFrame.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/ServiceManager.h"
#include "VekBase/ScopedTempFolder.h"

namespace vek::Desk
{
/// The services of the desk, made as the program makes them, and a folder for files.
class DeskFixture : public testing::Test
{
protected:
    DeskFixture() { m_frame.Start(); }

    QString Write(const QString& name, const QByteArray& content) const
    {
        return TestSupport::WriteFile(m_folder.GetPath() + u'/' + name, content);
    }

    /// What is said of a file, without its name; empty when it can be read.
    static std::string GetRefusal(const QString& path, const std::function<void()>& read)
    {
        try
        {
            read();
            return {};
        }
        catch (const Exception::AppException& exception)
        {
            EXPECT_TRUE(QString::fromUtf8(exception.what()).startsWith(path + ": ")) << exception.what();
            return QString::fromUtf8(exception.what()).mid(path.size() + 2).toStdString();
        }
    }

    /// Keeps what is reported, and ends the work where it is cancelled.
    struct Progress final : Threading::IProgression
    {
        void SetProgression(int value) override
        {
            values.push_back(value);
            if (isCanceled)
                throw Exception::E_Escape();
        }
        void SetTitle(const TrString&) override {}
        void SetCanceled(bool canceled) override { isCanceled = canceled; }
        [[nodiscard]] bool IsCanceled() const override { return isCanceled; }

        std::vector<int> values;
        bool isCanceled = false;
    };

    mutable Progress m_progress;
    const ScopedTempFolder m_folder;
    App::ApplicationFrame m_frame{App::AppConfiguration()};
};
} // namespace vek::Desk

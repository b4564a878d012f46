#pragma once
#include "InspectionDesk/IPlaneFitter.h"
#include "VekAppCore/App/ApplicationFrame.h"
#include "VekAppCore/App/Exception.h"
#include "VekAppCore/App/ServiceManager.h"
#include "VekBase/ScopedTempFolder.h"
#include <QFile>
#include <gmock/gmock.h>

namespace vek::Desk
{
/// The services of the desk, made as the program makes them, and a folder for files.
class DeskFixture : public testing::Test
{
protected:
    DeskFixture() { m_frame.Start(); }

    QString Write(const QString& name, const QByteArray& content) const
    {
        QFile file(m_folder.GetPath() + u'/' + name);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
        return file.fileName();
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

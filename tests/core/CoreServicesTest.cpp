// Environment flags, product folders, server time, the plug-in centre and the login state.

#include "Platform/Core/Environment.h"
#include "Platform/Core/LoginState.h"
#include "Platform/Core/PluginCenter.h"
#include "Platform/Core/ProductPath.h"
#include "Platform/Core/TimeDate.h"
#include "tests/common/TestSupport.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace {

namespace env = core::environment;

class EnvironmentTest : public ::testing::Test
{
protected:
    void TearDown() override { env::ResetForTest(); }
};

TEST_F(EnvironmentTest, EverythingIsOffWithoutArguments)
{
    env::InitFromArguments({QStringLiteral("vxworkspace")});
    EXPECT_FALSE(env::IsZandor());
    EXPECT_FALSE(env::IsReleaseAppVersion());
    EXPECT_FALSE(env::IsBankEdition());
    EXPECT_EQ(env::GetFirstMainBrokerId(), 0);
}

TEST_F(EnvironmentTest, ArgumentsSetTheFlagsAndOthersAreIgnored)
{
    env::InitFromArguments({QStringLiteral("vxworkspace"), QStringLiteral("--user=77"),
                            QStringLiteral("--brand=Zandor"), QStringLiteral("--release"),
                            QStringLiteral("--bank"), QStringLiteral("--broker=1234"),
                            QStringLiteral("--screenshot"), QStringLiteral("out.png")});
    EXPECT_TRUE(env::IsZandor());
    EXPECT_TRUE(env::IsReleaseAppVersion());
    EXPECT_TRUE(env::IsBankEdition());
    EXPECT_EQ(env::GetFirstMainBrokerId(), 1234);
}

TEST_F(EnvironmentTest, ProgramNameIsNotReadAsAnOption)
{
    env::InitFromArguments({QStringLiteral("--release")});
    EXPECT_FALSE(env::IsReleaseAppVersion());
}

TEST_F(EnvironmentTest, BrokerThatIsNotANumberIsLoggedAndIgnored)
{
    env::SetFirstMainBrokerId(55);
    const QString bad[] = {QStringLiteral("--broker=abc"), QStringLiteral("--broker="),
                           QStringLiteral("--broker=-4"), QStringLiteral("--broker=99999999999")};
    for (const QString& arg : bad) {
        SCOPED_TRACE(arg.toStdString());
        env::InitFromArguments({QStringLiteral("vxworkspace"), arg});
        EXPECT_EQ(env::GetFirstMainBrokerId(), 55);
        EXPECT_TRUE(vxtest::HasLog("ignoring \"" + arg.toStdString() + "\", not a broker id"));
    }
}

TEST_F(EnvironmentTest, CommandLineOverridesSettingsFlagByFlag)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    QSettings settings(dir.path() + QStringLiteral("/client.ini"), QSettings::IniFormat);
    settings.setValue(QStringLiteral("environment/brand"), QStringLiteral("zandor"));
    settings.setValue(QStringLiteral("environment/bank"), true);
    settings.setValue(QStringLiteral("environment/broker"), 77);

    env::InitFromSettings(settings);
    EXPECT_TRUE(env::IsZandor());
    EXPECT_TRUE(env::IsBankEdition());
    EXPECT_FALSE(env::IsReleaseAppVersion());
    EXPECT_EQ(env::GetFirstMainBrokerId(), 77);

    env::InitFromArguments(
        {QStringLiteral("vxworkspace"), QStringLiteral("--brand=other"), QStringLiteral("--broker=88")});
    EXPECT_FALSE(env::IsZandor());
    EXPECT_TRUE(env::IsBankEdition());
    EXPECT_EQ(env::GetFirstMainBrokerId(), 88);
}

TEST_F(EnvironmentTest, TestOverridesWinUntilReset)
{
    env::SetZandor(true);
    env::SetReleaseAppVersion(true);
    env::SetBankEdition(true);
    env::SetFirstMainBrokerId(9);
    EXPECT_TRUE(env::IsZandor() && env::IsReleaseAppVersion() && env::IsBankEdition());
    EXPECT_EQ(env::GetFirstMainBrokerId(), 9);

    env::ResetForTest();
    EXPECT_FALSE(env::IsZandor() || env::IsReleaseAppVersion() || env::IsBankEdition());
    EXPECT_EQ(env::GetFirstMainBrokerId(), 0);
}

class ProductPathTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_dir.isValid());
        core::product_path::SetRootOverride(root());
    }
    void TearDown() override
    {
        core::CLoginState::Instance().Logout();
        core::product_path::ResetForTest();
    }
    QString root() const { return m_dir.path(); }

private:
    QTemporaryDir m_dir;
};

TEST_F(ProductPathTest, FoldersLiveUnderTheRootOverride)
{
    EXPECT_EQ(core::product_path::GetAppFolder(), root() + QStringLiteral("/app"));

    const QString user = core::product_path::GetUserFolder(42);
    EXPECT_EQ(user, root() + QStringLiteral("/data/users/42"));
    EXPECT_TRUE(QFileInfo(user).isDir());
    EXPECT_EQ(core::product_path::GetUserFolder(0), root() + QStringLiteral("/data/users/guest"));

    core::product_path::SetAppFolderOverride(root() + QStringLiteral("/elsewhere"));
    EXPECT_EQ(core::product_path::GetAppFolder(), root() + QStringLiteral("/elsewhere"));
}

TEST_F(ProductPathTest, CurrentUserFolderFollowsTheLogin)
{
    EXPECT_EQ(core::product_path::GetCurrentUserFolder(), root() + QStringLiteral("/data/users/guest"));
    ASSERT_TRUE(core::CLoginState::Instance().Login(31337));
    EXPECT_EQ(core::product_path::GetCurrentUserFolder(), root() + QStringLiteral("/data/users/31337"));
    EXPECT_TRUE(QFileInfo(root() + QStringLiteral("/data/users/31337")).isDir());
}

TEST_F(ProductPathTest, ResourcesNextToTheApplicationWinOverTheSourceTree)
{
    const QString fromSource = core::product_path::GetResourceFolder();
    EXPECT_NE(fromSource, root() + QStringLiteral("/app/resources"));
    EXPECT_TRUE(QFileInfo(fromSource + QStringLiteral("/lang/en.json")).isFile()) << fromSource.toStdString();

    ASSERT_TRUE(QDir().mkpath(root() + QStringLiteral("/app/resources")));
    EXPECT_EQ(core::product_path::GetResourceFolder(), root() + QStringLiteral("/app/resources"));
}

TEST_F(ProductPathTest, UserFolderThatCannotBeCreatedIsLogged)
{
    vxtest::ExpectError("cannot create");
    // A file where the data folder should be.
    QFile blocker(root() + QStringLiteral("/data"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();

    const QString user = core::product_path::GetUserFolder(42);
    EXPECT_EQ(user, root() + QStringLiteral("/data/users/42"));
    EXPECT_FALSE(QFileInfo(user).exists());
    EXPECT_TRUE(vxtest::HasLog("product_path::GetUserFolder: cannot create"));
}

TEST(TimeDateTest, ServerTimeIsTheLocalClockPlusTheReportedOffset)
{
    constexpr long long kOffset = -3LL * 3600 * 1000;
    core::time_date::SetServerTimeOffsetMs(kOffset);
    EXPECT_EQ(core::time_date::GetServerTimeOffsetMs(), kOffset);

    const long long localBefore = QDateTime::currentMSecsSinceEpoch();
    const long long server = core::time_date::GetServerTimeMs();
    const long long localAfter = QDateTime::currentMSecsSinceEpoch();
    core::time_date::SetServerTimeOffsetMs(0);

    EXPECT_GE(server, localBefore + kOffset);
    EXPECT_LE(server, localAfter + kOffset);
    EXPECT_EQ(core::time_date::GetServerTimeOffsetMs(), 0);
}

// Module interfaces as the host program would register them.
struct IQuoteModule
{
    static const char* InterfaceName() { return "IQuoteModule"; }
    virtual ~IQuoteModule() = default;
    virtual std::string Name() const = 0;
};

struct IBusinessModule
{
    static const char* InterfaceName() { return "IBusinessModule"; }
    virtual ~IBusinessModule() = default;
    virtual std::shared_ptr<IQuoteModule> Quotes() const = 0;
};

struct NamedQuoteModule : IQuoteModule
{
    explicit NamedQuoteModule(std::string name) : m_name(std::move(name)) {}
    std::string Name() const override { return m_name; }
    std::string m_name;
};

struct BusinessModule : IBusinessModule
{
    std::shared_ptr<IQuoteModule> Quotes() const override { return m_quotes; }
    std::shared_ptr<IQuoteModule> m_quotes;
};

class PluginCenterTest : public ::testing::Test
{
protected:
    void TearDown() override { center.ResetForTest(); }
    core::IVXPluginCenter& center = core::IVXPluginCenter::Instance();
};

TEST_F(PluginCenterTest, RegisteredInterfaceIsCreatedAfreshOnEachRequest)
{
    int created = 0;
    center.Register<IQuoteModule>([&]() -> std::shared_ptr<IQuoteModule> {
        ++created;
        return std::make_shared<NamedQuoteModule>("level2");
    });

    EXPECT_TRUE(center.Has("IQuoteModule"));
    auto first = core::IVXPluginCenter::CreateInterface<IQuoteModule>();
    auto second = core::IVXPluginCenter::CreateInterface<IQuoteModule>();
    ASSERT_TRUE(first && second);
    EXPECT_EQ(first->Name(), "level2");
    EXPECT_NE(first.get(), second.get());
    EXPECT_EQ(created, 2);
}

TEST_F(PluginCenterTest, RegisteringAgainReplacesAndUnregisteringRemoves)
{
    center.Register<IQuoteModule>([] { return std::make_shared<NamedQuoteModule>("old"); });
    center.Register<IQuoteModule>([] { return std::make_shared<NamedQuoteModule>("new"); });
    EXPECT_EQ(core::IVXPluginCenter::CreateInterface<IQuoteModule>()->Name(), "new");

    center.UnRegister("IQuoteModule");
    EXPECT_FALSE(center.Has("IQuoteModule"));
    EXPECT_EQ(core::IVXPluginCenter::CreateInterface<IQuoteModule>(), nullptr);
}

TEST_F(PluginCenterTest, MissingInterfaceYieldsNull)
{
    EXPECT_EQ(core::IVXPluginCenter::CreateInterface<IBusinessModule>(), nullptr);
    EXPECT_EQ(center.CreateByName("INoSuchModule"), nullptr);
    EXPECT_TRUE(vxtest::HasLog("nothing registered for INoSuchModule"));
}

TEST_F(PluginCenterTest, CreatorMayAskTheCentreForTheInterfacesItNeeds)
{
    center.Register<IQuoteModule>([] { return std::make_shared<NamedQuoteModule>("quotes"); });
    center.Register<IBusinessModule>([]() -> std::shared_ptr<IBusinessModule> {
        auto module = std::make_shared<BusinessModule>();
        module->m_quotes = core::IVXPluginCenter::CreateInterface<IQuoteModule>();
        return module;
    });

    auto business = core::IVXPluginCenter::CreateInterface<IBusinessModule>();
    ASSERT_TRUE(business && business->Quotes());
    EXPECT_EQ(business->Quotes()->Name(), "quotes");
}

TEST_F(PluginCenterTest, NamelessOrEmptyRegistrationsAreRefused)
{
    vxtest::ExpectError("IVXPluginCenter::RegisterCreator");
    center.RegisterCreator("", [] { return std::make_shared<int>(1); });
    center.RegisterCreator("IQuoteModule", core::IVXPluginCenter::Creator());
    EXPECT_FALSE(center.Has(""));
    EXPECT_FALSE(center.Has("IQuoteModule"));
    EXPECT_TRUE(vxtest::HasLog("empty interface name"));
    EXPECT_TRUE(vxtest::HasLog("empty creator for IQuoteModule"));
}

class LoginStateTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QObject::connect(&login, &core::CLoginState::LoggedIn, &m_context,
                         [this](unsigned long long id) { events.push_back("in:" + std::to_string(id)); });
        QObject::connect(&login, &core::CLoginState::LoggedOut, &m_context,
                         [this](unsigned long long id) { events.push_back("out:" + std::to_string(id)); });
    }
    void TearDown() override { login.Logout(); }

    core::CLoginState& login = core::CLoginState::Instance();
    std::vector<std::string> events;

private:
    QObject m_context; // disconnects the recorders when the test ends
};

TEST_F(LoginStateTest, SignalsFireOncePerChange)
{
    QSignalSpy loggedIn(&login, &core::CLoginState::LoggedIn);
    QSignalSpy loggedOut(&login, &core::CLoginState::LoggedOut);
    EXPECT_FALSE(login.IsLoggedIn());

    EXPECT_TRUE(login.Login(7));
    EXPECT_TRUE(login.Login(7)); // no change
    EXPECT_TRUE(login.IsLoggedIn());
    EXPECT_EQ(login.GetUserID(), 7u);
    ASSERT_EQ(loggedIn.count(), 1);
    EXPECT_EQ(loggedIn.at(0).at(0).toULongLong(), 7u);
    EXPECT_EQ(loggedOut.count(), 0);

    login.Logout();
    login.Logout(); // no change
    EXPECT_EQ(loggedOut.count(), 1);
    EXPECT_FALSE(login.IsLoggedIn());
    EXPECT_EQ(events, (std::vector<std::string>{"in:7", "out:7"}));
}

TEST_F(LoginStateTest, LoggingInAsAnotherUserLogsTheFirstOneOut)
{
    ASSERT_TRUE(login.Login(7));
    ASSERT_TRUE(login.Login(8));
    EXPECT_EQ(login.GetUserID(), 8u);
    EXPECT_EQ(events, (std::vector<std::string>{"in:7", "out:7", "in:8"}));
}

TEST_F(LoginStateTest, UserZeroIsRefusedAndChangesNothing)
{
    vxtest::ExpectError("user id 0 refused");
    ASSERT_TRUE(login.Login(8));
    EXPECT_FALSE(login.Login(0));
    EXPECT_EQ(login.GetUserID(), 8u);
    EXPECT_EQ(events, (std::vector<std::string>{"in:8"}));
    EXPECT_TRUE(vxtest::HasLog("CLoginState::Login: user id 0 refused"));
}

TEST_F(LoginStateTest, LoginFromAnotherThreadIsRefused)
{
    vxtest::ExpectAssertion("IsMainThread");
    bool result = true;
    std::thread worker([&] { result = login.Login(9); });
    worker.join();
    EXPECT_FALSE(result);
    EXPECT_FALSE(login.IsLoggedIn());
    EXPECT_TRUE(events.empty());
    EXPECT_EQ(vxtest::CountAssertions("IsMainThread"), 1);
}

} // namespace

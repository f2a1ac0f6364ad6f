#include "platform/ado/odbc/driver_string.h"

#include <gmock/gmock.h>

#include "error_of.h"

namespace velmora::ado::odbc {
namespace {

using testing::HasSubstr;
using testing::Not;

const std::string kLogin = ";User ID=sa;Password=x";

DriverString translated(const std::string& text) {
  return driverString(ConnectionString(text));
}

TEST(DriverString, TranslatesTheSuitesFormForFreeTds) {
  struct Case {
    std::string ado;
    std::string attributes;  // between driver and login
  };
  const std::string utf8 = "ClientCharset=UTF-8;";
  for (const Case& c : {
           Case{"Provider=SQLOLEDB.1;Data Source=srv", "Server=srv;" + utf8},
           Case{"Provider=sqlncli11;Data Source=10.0.0.7,1434",
                "Server=10.0.0.7;Port=1434;" + utf8},
           Case{"Provider=MSOLEDBSQL;Server= tcp:srv , 1433 ", "Server=srv;Port=1433;" + utf8},
           Case{"Provider=SQLOLEDB;Data Source=srv\\AIS", "Server=srv\\AIS;" + utf8},
           Case{"Provider=SQLOLEDB;Data Source=srv\\AIS,5000", "Server=srv;Port=5000;" + utf8},
           Case{"Provider=SQLOLEDB;Data Source=(local)", "Server=localhost;" + utf8},
           Case{"Provider=SQLOLEDB;Data Source=.\\AIS", "Server=localhost\\AIS;" + utf8},
           Case{"Provider=SQLOLEDB;Data Source=fe80::1", "Server=fe80::1;" + utf8},
           Case{"Provider=SQLOLEDB;Data Source=srv;Encrypt=yes;Packet Size=8192",
                "Server=srv;" + utf8 + "Encryption=require;PacketSize=8192;"},
           Case{"Provider=SQLOLEDB;Persist Security Info=True;Network Library=dbmssocn;"
                "Auto Translate=True;Integrated Security=;Data Source=srv",
                "Server=srv;" + utf8},
           Case{"Provider=MSOLEDBSQL;Data Source=srv;Initial Catalog=AIS2008;"
                "Application Intent=ReadOnly;Application Name=a;Workstation ID=w",
                "Server=srv;" + utf8 + "Database=AIS2008;ApplicationIntent=ReadOnly;APP=a;WSID=w;"},
       })
    EXPECT_EQ(translated(c.ado + kLogin).text, "Driver={FreeTDS};" + c.attributes + "UID=sa;PWD=x;")
        << c.ado;
  EXPECT_THAT(translated("Provider=SQLOLEDB;Data Source=s;UID=a b;Pwd={p;}}w}").text,
              HasSubstr("UID=a b;PWD={p;}}w};"));
}

TEST(DriverString, PassesOdbcOn) {
  struct Case {
    std::string ado;
    std::string odbc;
  };
  for (const Case& c : {
           Case{"Driver={SQLite3};Database=/tmp/a b.db;Timeout=5",
                "Driver={SQLite3};Database=/tmp/a b.db;Timeout=5;"},
           Case{"DSN=books;UID=u;PWD=' p '", "DSN=books;UID=u;PWD={ p };"},
           Case{"Provider=MSDASQL.1;Data Source=books;User ID=u;Password=p;Initial Catalog=c;"
                "Persist Security Info=False",
                "DSN=books;UID=u;PWD=p;Database=c;"},
           Case{"Provider=MSDASQL;Extended Properties=\"DRIVER=FreeTDS;Server=s\";User ID=u",
                "DRIVER={FreeTDS};Server=s;UID=u;"},
       })
    EXPECT_EQ(translated(c.ado).text, c.odbc) << c.ado;
}

TEST(DriverString, LimitsTheLogin) {
  EXPECT_EQ(translated("DSN=a").loginTimeout, 15);
  EXPECT_EQ(translated("DSN=a;Connect Timeout=3").loginTimeout, 3);
  EXPECT_EQ(translated("DSN=a;connection timeout=0").text, "DSN=a;");
  EXPECT_EQ(translated("Provider=SQLOLEDB;Data Source=s;Connect Timeout=7" + kLogin).loginTimeout,
            7);
}

TEST(DriverString, RefusesWhatCannotWork) {
  struct Case {
    std::string ado;
    std::string reason;
  };
  const std::string server = "Provider=SQLOLEDB.1;Data Source=srv;";
  for (const Case& c : {
           Case{server + "Integrated Security=SSPI",
                "\"Integrated Security\" is \"SSPI\"; expected a SQL Server login"},
           Case{server + "Trusted_Connection=maybe;UID=a", "expected yes or no"},
           Case{server + "Password=topsecret", "User ID is missing"},
           Case{server + "UID=a;Databse=AIS;Password=topsecret", "\"Databse\" is not known"},
           Case{server + "UID=a;Connect Timeout=soon", "is \"soon\"; expected a whole number"},
           Case{server + "UID=a;Connect Timeout=-1", "expected a whole number"},
           Case{"Provider=SQLOLEDB;UID=a;Password=topsecret", "Data Source is missing"},
           Case{"Provider=SQLOLEDB;Data Source=np:srv;UID=a",
                "\"np:srv\"; expected host, host,port"},
           Case{"Provider=SQLOLEDB;Data Source=srv,99999;UID=a", "\"srv,99999\"; expected host"},
           Case{"Provider=SQLOLEDB;Data Source=srv\\;UID=a", "expected host"},
           Case{"Provider=SQLOLEDB;Data Source=,1433;UID=a", "expected host"},
           Case{"Provider=MSDASQL;User ID=u;PWD=topsecret", "expected Driver={...} or DSN=..."},
       }) {
    const com::Error error = errorOf([&] { translated(c.ado); });
    EXPECT_EQ(error.number(), com::error::kProviderConnect) << c.ado;
    EXPECT_THAT(error.description(), HasSubstr(c.reason)) << c.ado;
    EXPECT_THAT(error.description(), Not(HasSubstr("topsecret"))) << c.ado;
  }
}

}  // namespace
}  // namespace velmora::ado::odbc

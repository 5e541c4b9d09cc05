// SPDX-License-Identifier: MIT
#include "base/result.h"
#include "tests/support/testmain.h"

#include <QtTest>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

struct NumberedError : Error
{
    int number = 0;
};

Result<int> numberIn(const QString &text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber)
        return Error{u"\"%1\" is not a number"_s.arg(text)};
    return number;
}

Result<void> succeedIf(bool succeeds)
{
    if (!succeeds)
        return Error{u"refused"_s};
    return {};
}

} // namespace

class ResultTest : public QObject
{
    Q_OBJECT

private slots:
    void hasTheValueOfASuccess();
    void hasTheErrorOfAFailure();
    void valueOrReplacesOnlyAMissingValue();
    void givesAwayAValueThatCannotBeCopied();
    void succeedsWithoutAValue();
    void successWithoutItsValueIsASuccess();
    void failureWithoutItsValueKeepsTheError();
    void hasTheChosenKindOfError();
    void equalsItsValueOrItsError();
};

void ResultTest::hasTheValueOfASuccess()
{
    const Result<int> result = numberIn(u"12"_s);
    QVERIFY(result);
    QCOMPARE(*result, 12);
    const Result<QString> text = u"abc"_s;
    QCOMPARE(text->size(), 3);
}

void ResultTest::hasTheErrorOfAFailure()
{
    const Result<int> result = numberIn(u"twelve"_s);
    QVERIFY(!result);
    QCOMPARE(result.error().message, u"\"twelve\" is not a number"_s);
}

void ResultTest::valueOrReplacesOnlyAMissingValue()
{
    QCOMPARE(numberIn(u"0"_s).valueOr(7), 0);
    QCOMPARE(numberIn(u"none"_s).valueOr(7), 7);
}

void ResultTest::givesAwayAValueThatCannotBeCopied()
{
    Result<std::unique_ptr<int>> result = std::make_unique<int>(5);
    const int *const made = result->get();
    const std::unique_ptr<int> taken = result.take();
    QCOMPARE(taken.get(), made);
    QVERIFY(!*result);
}

void ResultTest::succeedsWithoutAValue()
{
    QVERIFY(succeedIf(true));
    const Result<void> refused = succeedIf(false);
    QVERIFY(!refused);
    QCOMPARE(refused.error().message, u"refused"_s);
}

void ResultTest::successWithoutItsValueIsASuccess()
{
    QVERIFY(numberIn(u"0"_s).withoutValue());
}

void ResultTest::failureWithoutItsValueKeepsTheError()
{
    const Result<int, NumberedError> failure = NumberedError{{u"refused"_s}, 5};
    QCOMPARE(failure.withoutValue().error().number, 5);
    const Result<void, Error> plain = failure.withoutValue<Error>(); // for a caller that knows no numbers
    QVERIFY(!plain);
    QCOMPARE(plain.error().message, u"refused"_s);
}

void ResultTest::hasTheChosenKindOfError()
{
    enum class Reason { tooLate, unknown };
    const Result<QString, Reason> late = Reason::tooLate;
    QVERIFY(!late);
    QVERIFY(late.error() == Reason::tooLate);
}

void ResultTest::equalsItsValueOrItsError()
{
    enum class Reason { tooLate, unknown };
    const Result<int, Reason> value = 3;
    QVERIFY(value == 3);
    QVERIFY(value != 4);
    QVERIFY(value != Reason::tooLate);
    const Result<int, Reason> late = Reason::tooLate;
    QVERIFY(late == Reason::tooLate);
    QVERIFY(late != Reason::unknown);
    QVERIFY(late != 0);
    const Result<void, Reason> success;
    QVERIFY((success == Result<void, Reason>()));
    QVERIFY(success != Reason::tooLate);
    const Result<void, Reason> unknown = Reason::unknown;
    QVERIFY(unknown == Reason::unknown);
    QVERIFY(unknown != Reason::tooLate);
}

QTEST_GUILESS_MAIN(ResultTest)
#include "resulttest.moc"

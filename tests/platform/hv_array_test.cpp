#include <pt_platform/hv.h>

#include <gtest/gtest.h>

#include <stdexcept>
#include <tuple>
#include <vector>

namespace {

TEST(HostValues, ShapesAndClassTests) {
    const hvUniqueArray text(hvCreateString("abc"));
    EXPECT_EQ(std::tuple(hvGetClassID(text.get()), hvGetM(text.get()), hvGetN(text.get()),
                         hvIsCharVector(text.get()), hvIsScalar(text.get())),
              std::tuple(hvClassID::Char, 1u, 3u, true, false));
    const hvUniqueArray emptyText(hvCreateString(""));  // 1-by-0 is a row
    EXPECT_EQ(std::tuple(hvGetN(emptyText.get()), hvIsCharVector(emptyText.get()),
                         hvIsEmpty(emptyText.get())),
              std::tuple(0u, true, true));

    const std::size_t column[] = {4, 1}, square[] = {2, 2};
    EXPECT_EQ(std::tuple(hvIsCharVector(hvUniqueArray(hvCreateCharArray(2, column)).get()),
                         hvIsCharVector(hvUniqueArray(hvCreateCharArray(2, square)).get()),
                         hvIsCharVector(hvUniqueArray(hvCreateDoubleMatrix(1, 3)).get())),
              std::tuple(true, false, false));

    // Trailing ones are dropped, missing dimensions padded.
    const std::size_t threeD[] = {2, 3, 1, 1}, oneD[] = {5}, deep[] = {2, 1, 3};
    const hvUniqueArray cube(hvCreateNumericArray(4, threeD, hvClassID::UInt16));
    const hvUniqueArray column5(hvCreateNumericArray(1, oneD, hvClassID::Int8));
    const hvUniqueArray nd(hvCreateCellArray(3, deep));
    EXPECT_EQ(std::tuple(hvGetNumberOfDimensions(cube.get()), hvGetM(column5.get()),
                         hvGetN(column5.get()), hvGetNumberOfDimensions(nd.get()), hvGetN(nd.get()),
                         hvGetNumberOfElements(nd.get()), hvIsVector(nd.get())),
              std::tuple(2u, 5u, 1u, 3u, 3u, 6u, false));

    const hvUniqueArray yes(hvCreateLogicalScalar(true));
    const hvUniqueArray no(hvCreateLogicalScalar(false));
    const hvUniqueArray one(hvCreateDoubleScalar(1));
    EXPECT_EQ(std::tuple(hvIsLogicalScalar(yes.get()), hvIsLogicalScalarTrue(yes.get()),
                         hvIsLogicalScalar(no.get()), hvIsLogicalScalarTrue(no.get()),
                         hvIsLogicalScalarTrue(one.get())),
              std::tuple(true, true, true, false, false));

    // Null answers as an empty value of no class.
    EXPECT_EQ(std::tuple(hvGetClassID(nullptr), hvIsEmpty(nullptr), hvIsVector(nullptr),
                         hvGetScalar(nullptr), hvArrayToStdString(nullptr)),
              std::tuple(hvClassID::Unknown, true, false, 0.0, ""));
}

TEST(HostValues, ScalarsOfEveryClass) {
    const auto scalar = [](hvArray* value) { return hvGetScalar(hvUniqueArray(value).get()); };
    EXPECT_EQ((std::vector{scalar(hvCreateDoubleScalar(-2.5)), scalar(hvCreateLogicalScalar(true)),
                           scalar(hvCreateString("A")), scalar(hvCreateCellMatrix(1, 1)),
                           scalar(hvCreateDoubleMatrix(0, 0))}),
              (std::vector{-2.5, 1.0, 65.0, 0.0, 0.0}));

    const std::size_t one[] = {1, 1};
    const hvUniqueArray minus(hvCreateNumericArray(2, one, hvClassID::Int64));
    *static_cast<std::int64_t*>(hvGetData(minus.get())) = -7;
    EXPECT_EQ(
        std::tuple(hvGetScalar(minus.get()), hvIsNumeric(minus.get()), hvGetDoubles(minus.get())),
        std::tuple(-7.0, true, nullptr));

    EXPECT_THROW(hvCreateNumericArray(2, one, hvClassID::Cell), std::invalid_argument);
    EXPECT_THROW(hvCreateNumericArray(2, one, hvClassID::Char), std::invalid_argument);
    const std::size_t huge[] = {std::size_t{1} << 40, std::size_t{1} << 40};
    EXPECT_THROW(hvCreateDoubleMatrix(huge[0], huge[1]), std::bad_alloc);
    EXPECT_THROW(hvCreateCellArray(2, huge), std::bad_alloc);
}

TEST(HostValues, CellsOwnTheirElements) {
    hvUniqueArray cell(hvCreateCellMatrix(2, 3));
    EXPECT_EQ(hvGetCell(cell.get(), 0), nullptr);
    hvSetCell(cell.get(), 5, hvCreateString("last"));
    hvSetCell(cell.get(), 5, hvCreateString("replaced"));  // the old element is released
    const std::size_t subs[] = {1, 2};
    EXPECT_EQ(std::tuple(hvArrayToStdString(hvGetCell(cell.get(), 5)), hvGetCell(cell.get(), 6),
                         hvGetCell(hvUniqueArray(hvCreateDoubleScalar(1)).get(), 0),
                         hvCalcSingleSubscript(cell.get(), 2, subs)),
              std::tuple("replaced", nullptr, nullptr, 5u));
    EXPECT_THROW(hvSetCell(cell.get(), 6, hvCreateString("lost")), std::out_of_range);

    hvUniqueArray copy(hvDuplicateArray(cell.get()));
    ASSERT_TRUE(hvIsEqual(copy.get(), cell.get()));
    EXPECT_NE(hvGetCell(copy.get(), 5), hvGetCell(cell.get(), 5));
    hvSetCell(copy.get(), 0, hvCreateDoubleScalar(1));
    EXPECT_FALSE(hvIsEqual(copy.get(), cell.get()));
    EXPECT_EQ(hvGetCell(cell.get(), 0), nullptr);

    EXPECT_EQ(hvDuplicateArray(nullptr), nullptr);
    hvDestroyArray(nullptr);
}

TEST(HostValues, StructuresByFieldNumberAndName) {
    const char* names[] = {"alpha", "beta"};
    hvUniqueArray s(hvCreateStructMatrix(1, 2, 2, names));
    hvSetFieldByNumber(s.get(), 1, 0, hvCreateDoubleScalar(3));
    EXPECT_STREQ(hvGetFieldNameByNumber(s.get(), 1), "beta");
    EXPECT_EQ(
        std::tuple(hvGetNumberOfFields(s.get()), hvGetFieldNameByNumber(s.get(), 2),
                   hvGetFieldNumber(s.get(), "gamma"), hvGetScalar(hvGetField(s.get(), 1, "alpha")),
                   hvGetField(s.get(), 0, "alpha")),
        std::tuple(2, nullptr, -1, 3.0, nullptr));
    EXPECT_THROW(hvSetFieldByNumber(s.get(), 2, 0, hvCreateDoubleScalar(1)), std::out_of_range);
    EXPECT_THROW(hvSetFieldByNumber(s.get(), 0, 2, hvCreateDoubleScalar(1)), std::out_of_range);

    // A field added anew, or found; the values are kept when the structure widens.
    EXPECT_EQ(std::pair(hvAddField(s.get(), "gamma"), hvAddField(s.get(), "alpha")),
              std::pair(2, 0));
    hvSetFieldByNumber(s.get(), 0, 2, hvCreateString("g"));
    EXPECT_EQ(std::tuple(hvGetScalar(hvGetField(s.get(), 1, "alpha")),
                         hvArrayToStdString(hvGetFieldByNumber(s.get(), 0, 2))),
              std::tuple(3.0, "g"));

    const char* twice[] = {"same", "same"};
    EXPECT_THROW(hvCreateStructMatrix(1, 1, 2, twice), std::invalid_argument);

    const hvUniqueArray copy(hvDuplicateArray(s.get()));
    EXPECT_TRUE(hvIsEqual(copy.get(), s.get()));
}

}  // namespace

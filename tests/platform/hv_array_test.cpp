#include <pt_platform/hv.h>

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

TEST(HostValues, ShapesAndClassTests) {
    const hvUniqueArray text(hvCreateString("abc"));
    EXPECT_EQ(hvGetClassID(text.get()), hvClassID::Char);
    EXPECT_EQ(hvGetM(text.get()), 1u);
    EXPECT_EQ(hvGetN(text.get()), 3u);
    EXPECT_TRUE(hvIsCharVector(text.get()));
    EXPECT_FALSE(hvIsScalar(text.get()));

    const hvUniqueArray emptyText(hvCreateString(""));
    EXPECT_EQ(hvGetN(emptyText.get()), 0u);
    EXPECT_TRUE(hvIsCharVector(emptyText.get()));  // 1-by-0 is a row
    EXPECT_TRUE(hvIsEmpty(emptyText.get()));

    const std::size_t column[] = {4, 1};
    const hvUniqueArray chars(hvCreateCharArray(2, column));
    EXPECT_TRUE(hvIsCharVector(chars.get()));
    const std::size_t square[] = {2, 2};
    const hvUniqueArray block(hvCreateCharArray(2, square));
    EXPECT_FALSE(hvIsCharVector(block.get()));
    EXPECT_FALSE(hvIsCharVector(hvUniqueArray(hvCreateDoubleMatrix(1, 3)).get()));

    // Trailing ones are dropped, missing dimensions padded.
    const std::size_t threeD[] = {2, 3, 1, 1};
    const hvUniqueArray cube(hvCreateNumericArray(4, threeD, hvClassID::UInt16));
    EXPECT_EQ(hvGetNumberOfDimensions(cube.get()), 2u);
    const std::size_t oneD[] = {5};
    const hvUniqueArray column5(hvCreateNumericArray(1, oneD, hvClassID::Int8));
    EXPECT_EQ(hvGetM(column5.get()), 5u);
    EXPECT_EQ(hvGetN(column5.get()), 1u);
    const std::size_t deep[] = {2, 1, 3};
    const hvUniqueArray nd(hvCreateCellArray(3, deep));
    EXPECT_EQ(hvGetNumberOfDimensions(nd.get()), 3u);
    EXPECT_EQ(hvGetN(nd.get()), 3u);
    EXPECT_EQ(hvGetNumberOfElements(nd.get()), 6u);
    EXPECT_FALSE(hvIsVector(nd.get()));

    const hvUniqueArray yes(hvCreateLogicalScalar(true));
    const hvUniqueArray no(hvCreateLogicalScalar(false));
    EXPECT_TRUE(hvIsLogicalScalar(yes.get()) && hvIsLogicalScalarTrue(yes.get()));
    EXPECT_TRUE(hvIsLogicalScalar(no.get()));
    EXPECT_FALSE(hvIsLogicalScalarTrue(no.get()));
    EXPECT_FALSE(hvIsLogicalScalarTrue(hvUniqueArray(hvCreateDoubleScalar(1)).get()));

    // Null answers as an empty value of no class.
    EXPECT_EQ(hvGetClassID(nullptr), hvClassID::Unknown);
    EXPECT_TRUE(hvIsEmpty(nullptr));
    EXPECT_FALSE(hvIsVector(nullptr));
    EXPECT_EQ(hvGetScalar(nullptr), 0.0);
    EXPECT_EQ(hvArrayToStdString(nullptr), "");
}

TEST(HostValues, ScalarsOfEveryClass) {
    EXPECT_EQ(hvGetScalar(hvUniqueArray(hvCreateDoubleScalar(-2.5)).get()), -2.5);
    EXPECT_EQ(hvGetScalar(hvUniqueArray(hvCreateLogicalScalar(true)).get()), 1.0);
    EXPECT_EQ(hvGetScalar(hvUniqueArray(hvCreateString("A")).get()), 65.0);
    EXPECT_EQ(hvGetScalar(hvUniqueArray(hvCreateCellMatrix(1, 1)).get()), 0.0);
    EXPECT_EQ(hvGetScalar(hvUniqueArray(hvCreateDoubleMatrix(0, 0)).get()), 0.0);

    const std::size_t one[] = {1, 1};
    const hvUniqueArray minus(hvCreateNumericArray(2, one, hvClassID::Int64));
    *static_cast<std::int64_t*>(hvGetData(minus.get())) = -7;
    EXPECT_EQ(hvGetScalar(minus.get()), -7.0);
    EXPECT_TRUE(hvIsNumeric(minus.get()));
    EXPECT_EQ(hvGetDoubles(minus.get()), nullptr);

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
    EXPECT_EQ(hvArrayToStdString(hvGetCell(cell.get(), 5)), "replaced");
    EXPECT_EQ(hvGetCell(cell.get(), 6), nullptr);
    EXPECT_EQ(hvGetCell(hvUniqueArray(hvCreateDoubleScalar(1)).get(), 0), nullptr);
    EXPECT_THROW(hvSetCell(cell.get(), 6, hvCreateString("lost")), std::out_of_range);

    const std::size_t subs[] = {1, 2};
    EXPECT_EQ(hvCalcSingleSubscript(cell.get(), 2, subs), 5u);

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
    EXPECT_EQ(hvGetNumberOfFields(s.get()), 2);
    EXPECT_STREQ(hvGetFieldNameByNumber(s.get(), 1), "beta");
    EXPECT_EQ(hvGetFieldNameByNumber(s.get(), 2), nullptr);
    EXPECT_EQ(hvGetFieldNumber(s.get(), "gamma"), -1);

    hvSetFieldByNumber(s.get(), 1, 0, hvCreateDoubleScalar(3));
    EXPECT_EQ(hvGetScalar(hvGetField(s.get(), 1, "alpha")), 3.0);
    EXPECT_EQ(hvGetField(s.get(), 0, "alpha"), nullptr);
    EXPECT_THROW(hvSetFieldByNumber(s.get(), 2, 0, hvCreateDoubleScalar(1)), std::out_of_range);
    EXPECT_THROW(hvSetFieldByNumber(s.get(), 0, 2, hvCreateDoubleScalar(1)), std::out_of_range);

    EXPECT_EQ(hvAddField(s.get(), "gamma"), 2);
    EXPECT_EQ(hvAddField(s.get(), "alpha"), 0);
    EXPECT_EQ(hvGetScalar(hvGetField(s.get(), 1, "alpha")), 3.0);  // kept when widened
    hvSetFieldByNumber(s.get(), 0, 2, hvCreateString("g"));
    EXPECT_EQ(hvArrayToStdString(hvGetFieldByNumber(s.get(), 0, 2)), "g");

    const char* twice[] = {"same", "same"};
    EXPECT_THROW(hvCreateStructMatrix(1, 1, 2, twice), std::invalid_argument);

    const hvUniqueArray copy(hvDuplicateArray(s.get()));
    EXPECT_TRUE(hvIsEqual(copy.get(), s.get()));
}

}  // namespace

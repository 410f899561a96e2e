"""Medians, ratios and targets of made-up numbers."""

import pytest

from comparison.figures import Row, Sample, Target, growth_exponent, ratio, sample


def row(rounds, **facts):
    return Row("in process", "photographs jpeg", "libexif", "us/file", rounds, **facts)


def test_sample_is_the_median_and_the_quartiles_around_it():
    assert sample([50, 10, 30, 20, 40]) == Sample(20, 30, 40)


def test_sample_of_one_number_has_no_spread():
    assert sample([7]) == Sample(7, 7, 7)


def test_sample_passes_over_a_single_slow_round():
    assert sample([10, 10, 10, 10, 9000]).median == 10


def test_ratio_is_taken_within_each_round():
    # The last round was slow for one side only, the one before for both.
    assert ratio([10, 30, 40], [20, 60, 40]).median == 0.5


def test_ratio_needs_as_many_rounds_of_both():
    with pytest.raises(ValueError):
        ratio([1, 2], [1])


@pytest.mark.parametrize("small, large, power", [(3, 300, 1), (3, 30_000, 2), (3, 3, 0)])
def test_growth_is_told_as_a_power_of_the_size(small, large, power):
    assert growth_exponent(10, small, 1000, large) == pytest.approx(power)


def test_row_without_ours_has_no_ratio():
    assert row([1, 2]).ratio is None
    assert row([1, 2]).is_met is None


@pytest.mark.parametrize("ours, is_met", [(5, True), (6, True), (7, False)])
def test_ratio_may_reach_its_target_and_no_more(ours, is_met):
    assert row([10], ours=[ours], target=Target(0.6)).is_met == is_met


@pytest.mark.parametrize("ours, is_met", [(49, False), (50, True), (51, True)])
def test_speed_must_reach_its_target(ours, is_met):
    assert row([10], ours=[ours], target=Target(5, at_least=True)).is_met == is_met


def test_target_of_a_figure_leaves_the_ratio_alone():
    target = Target(2.5, of="figure")
    assert row([2.4], ours=[100], target=target).is_met
    assert not row([2.6], ours=[0.1], target=target).is_met

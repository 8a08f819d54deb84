"""The words of a number."""

ONES = """zero one two three four five six seven eight nine ten eleven twelve thirteen fourteen
fifteen sixteen seventeen eighteen nineteen""".split()
TENS = "twenty thirty forty fifty sixty seventy eighty ninety".split()


def words(number):
    """How a recording speaks `number`, 1 to 199: short, so without an "and"."""
    if number >= 100:
        rest = number - 100
        return "one hundred" + (" " + words(rest) if rest else "")
    if number < 20:
        return ONES[number]
    ten, one = divmod(number, 10)
    return TENS[ten - 2] + ("-" + ONES[one] if one else "")

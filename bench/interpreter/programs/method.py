# A method of a numeric value called in a loop: the row count of a matrix.
class Matrix:
    def __init__(self, rows, columns):
        self.data = [[0.0] * columns for _ in range(rows)]

    def rowNumber(self):
        return len(self.data)


def main():
    a = Matrix(3, 4)
    total = 0
    for i in range(200000):
        total = total + a.rowNumber()
    print(total)


main()

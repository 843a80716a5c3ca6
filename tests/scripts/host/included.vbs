Function Twice(n)
    If n < 0 Then Err.Raise vbObjectError + 1, "Twice", "negative"
    Twice = 2 * n
End Function

(vl-catch-all-apply 'eval (list '(trace surely-unset)))

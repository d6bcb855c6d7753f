; Checks written in LISP. A form is quoted, so that an error in it fails this check only:
;   (check '(car '(1 2)) 1)
;   (check-error '(car 1) "bad argument type: consp: 1")
(setq *checks* 0
      *failures* 0
)

(defun check-fail (form what)
  (setq *failures* (1+ *failures*))
  (princ "\nFAILED ")
  (prin1 form)
  (princ "\n  ")
  (princ what)
)

; Equal in every bit of the printed form too: 1 is not 1.0 here.
(defun check (form expected / got)
  (setq *checks* (1+ *checks*)
        got      (vl-catch-all-apply 'eval (list form))
  )
  (cond
    ((vl-catch-all-error-p got)
     (check-fail form (strcat "error: " (vl-catch-all-error-message got)))
    )
    ((not (and (equal got expected)
               (= (vl-prin1-to-string got) (vl-prin1-to-string expected))
          )
     )
     (check-fail form
                 (strcat (vl-prin1-to-string got) " instead of " (vl-prin1-to-string expected))
     )
    )
  )
)

(defun check-near (form expected / got)
  (setq *checks* (1+ *checks*)
        got      (vl-catch-all-apply 'eval (list form))
  )
  (if (or (vl-catch-all-error-p got) (not (equal got expected 1e-9)))
    (check-fail form (strcat "is not near " (vl-prin1-to-string expected)))
  )
)

(defun check-error (form message / got)
  (setq *checks* (1+ *checks*)
        got      (vl-catch-all-apply 'eval (list form))
  )
  (cond
    ((not (vl-catch-all-error-p got))
     (check-fail form (strcat "no error but " (vl-prin1-to-string got)))
    )
    ((/= (vl-catch-all-error-message got) message)
     (check-fail form (strcat "another error: " (vl-catch-all-error-message got)))
    )
  )
)
